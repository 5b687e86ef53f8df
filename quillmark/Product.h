// The product's constants.
#pragma once

#define QM_PRODUCT_NAME L"Quillmark"
#define QM_PRODUCT_WORD L"quillmark"
#define QM_PRODUCT_VERSION L"2.7.1.0"
#define QM_COMMAND_GROUP L"Norvo"
#define QM_MESSAGE_TITLE L"Norvo Quillmark"
#define QM_EVALUATOR_MODULE L"QuillmarkEval.dbx"
#define QM_MENU_GROUP L"Quillmark"
#define QM_MENU_EXTENSION L".cuix"

// The maker's web site (scheme, no trailing slash), its host, and the
// support mailbox. They are reserved names, so that nothing the module does
// reaches a real host until a release names the real ones.
#define QM_MAKER_SITE L"http://www.norvo.example"
#define QM_MAKER_HOST L"www.norvo.example"
#define QM_SUPPORT_MAILBOX L"support@norvo.example"
// The list of current versions on the maker's web host.
#define QM_UPDATE_LIST_PATH L"updatelist/checkforupdate.txt"
#define QM_HELP_FILE L"Quillmark.chm"
