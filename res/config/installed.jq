# Keeps only the members that the library reads, in the same order. The checks use the other members.
{
  keyboard_name_map: [.keyboard_name_map[] | {name, display_name}],
  lang_local_keyboard_type_table: [
    .lang_local_keyboard_type_table[] | {lang_local, keyboard_types}
  ]
}
