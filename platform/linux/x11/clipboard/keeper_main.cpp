#include "platform/linux/x11/clipboard/keeper_process.h"

// The keeper of programs that embed the library: such a program may have threads, so that no copy of it can be the
// keeper. Started by `lomaris::spawnKeeper`; of no use by itself.
int main() { lomaris::runKeeperProgram(); }
