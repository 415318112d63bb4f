// The functions of the menu item table. They read and store the keyboard language and type, and
// build their lists of choices. None of them catches exceptions of the platform.
// set_kvreg_lang_string() and the two list builders also throw std::bad_alloc.
#ifndef MORVITH_WRAP_H
#define MORVITH_WRAP_H

// Set `*value` to the stored value, a string on the C heap that the caller frees, or to null.
void get_kvreg_lang_string(char** value);
void get_kvreg_type_string(char** value);

// Stores `value`, or the default language if the device does not support `value`. Then stores the
// first keyboard type of that language. A null value stores nothing.
void set_kvreg_lang_string(const char* value);

// Stores `value` without checking it. A null value stores nothing.
void set_kvreg_type_string(const char* value);

// Build a list of choices (MenuList.h). `key` is not used. The type list has the types of the
// stored language. If that language cannot be read, the type list is null and `*count` unchanged.
void** get_qel_languagelist(const char* key, int* count);
void** get_qel_typelist(const char* key, int* count);

#endif
