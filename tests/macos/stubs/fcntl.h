// This system's header, with the Mac's additions.
#pragma once

#include_next <fcntl.h>

#define F_FULLFSYNC 51
