// The system library at hand, with what a Mac's has besides.
#pragma once

#include_next <fcntl.h>

#define F_FULLFSYNC 51
