#pragma once

// Where Foundation's headers look for the block runtime.
#include <Block.h>
