// Ids of the host's own resources.
#pragma once

// The Field dialog.
#define IDD_ACFD_FIELD_DIALOG 30000
#define IDC_ACFD_CATEGORY 1001
#define IDC_ACFD_FIELD_LIST 1002
#define IDC_ACFD_OPTION_AREA 1003
#define IDC_ACFD_PREVIEW 1004
#define IDC_ACFD_FIELD_CODE 1005
