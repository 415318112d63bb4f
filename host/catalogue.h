// Checks a message catalogue. gettext maps it without a check, so damage can end the process.
#ifndef HOST_CATALOGUE_H
#define HOST_CATALOGUE_H

#include <string>

// Checks the structure of the catalogue (.mo) at `path`, and that its texts are UTF-8. Throws
// HostError with the reason if it is damaged, unreadable or not a regular file. Plural forms and
// formats later than revision 0 are refused: no text of the page needs them.
void CheckCatalogueFile(const std::string& path);

#endif
