// The framework's common controls. The platform's modules here use none
// beyond the standard controls.
#pragma once

#include "afxwin.h"
