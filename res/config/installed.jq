# Keeps only the members that the library reads, in the same order. The checks use the other members.
# jq replaces a byte that is not UTF-8 with U+FFFD.
if any(.. | strings; contains("\ufffd"))
then error("a text has U+FFFD, or a byte that is not UTF-8; run checks/check-data")
else .
end
| {
  keyboard_name_map: [.keyboard_name_map[] | {name, display_name}],
  lang_local_keyboard_type_table: [
    .lang_local_keyboard_type_table[] | {lang_local, keyboard_types}
  ]
}
