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
