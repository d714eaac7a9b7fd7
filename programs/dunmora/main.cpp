#include "adapters/bundle/BuildBundle.h"
#include "programs/dunmora/RunDunmora.h"

int main(int argc, char* argv[])
{
    dunmora::BuildBundle bundle;
    return dunmora::runDunmora(argc, argv, bundle);
}
