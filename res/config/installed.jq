# Keeps the members that the library reads, in the same order. The others are for the checks.
{
  keyboard_name_map: [.keyboard_name_map[] | {name, display_name}],
  lang_local_keyboard_type_table: [
    .lang_local_keyboard_type_table[] | {lang_local, keyboard_types}
  ]
}
