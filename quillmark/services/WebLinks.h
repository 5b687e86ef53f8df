// The links of the module's commands: the maker's web pages, a support
// mail and the help file, each handed to the shell to open. Nothing waits
// for the result or looks at it.
#pragma once

#include "StdAfx.h"

// The maker's site, and the download page that the update check shows.
CString MakerSite();
CString DownloadPage();
CString SupportMailbox();

void OpenWebsite();
// The FAQ and what's-new pages of a product, named by its lower-case word.
void OpenFaq(LPCTSTR product);
void OpenWhatsNew(LPCTSTR product);
void OpenDemo();
// A mail to support whose body asks for the facts that help: the system,
// the CAD platform's version, the product and its version.
void OpenSupportMail();
// A file beside the module, whatever the current folder.
void OpenHelpFile(LPCTSTR fileName);

// The mail address that OpenSupportMail hands on.
CString SupportMailAddress();
// The path that OpenHelpFile hands on.
CString HelpFilePath(LPCTSTR fileName);
