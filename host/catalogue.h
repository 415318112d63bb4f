// Checks a message catalogue. gettext maps it without a check, so damage can end the process.
#ifndef HOST_CATALOGUE_H
#define HOST_CATALOGUE_H

#include <string>

// Throws HostError if the catalogue (.mo) at `path` cannot be read, its structure is damaged, or
// its texts are not UTF-8. The message is "'path' is damaged: " and the reason. Also refuses plural
// forms and later revisions of the format, which no text of the page needs.
void CheckCatalogueFile(const std::string& path);

#endif
