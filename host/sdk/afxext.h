// The framework's extensions. The controls that the platform's modules use
// are all declared with the windows.
#pragma once

#include "afxwin.h"
#include "afxdlgs.h"
