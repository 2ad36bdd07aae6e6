#include "Tests/Support/CInterfaceRig.h"
