// The text that names the operating system in a support mail.
#pragma once

#include "StdAfx.h"

// A family name by platform and version, then on the NT family an edition
// and the service pack text with the build number and a line break. Empty
// when the system tells nothing of itself.
CString GetOsDescription();
