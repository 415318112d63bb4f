// The stored keyboard language and type, and the lists of choices for them: what the two settings
// of the menu item table are bound to. Each throws what the platform throws; the language's setter
// and the lists throw std::bad_alloc when memory is exhausted.
#ifndef MORVITH_WRAP_H
#define MORVITH_WRAP_H

// Set `*value` to the stored choice, a C heap string for the caller, or to null.
void get_kvreg_lang_string(char** value);
void get_kvreg_type_string(char** value);

// Stores `value` if the device supports this language, the default language if not, and with it
// the first keyboard type of the language stored. A null value stores nothing.
void set_kvreg_lang_string(const char* value);

// Stores `value` as it is. A null value stores nothing.
void set_kvreg_type_string(const char* value);

// Build the list of choices (MenuList.h); `key` is not read. The type list is that of the stored
// language: null, with `*count` as it was, when that cannot be read.
void** get_qel_languagelist(const char* key, int* count);
void** get_qel_typelist(const char* key, int* count);

#endif
