# What a device reads of the configuration, in the same order: the rest is for the checks.
{
  keyboard_name_map: [.keyboard_name_map[] | {name, display_name}],
  lang_local_keyboard_type_table: [
    .lang_local_keyboard_type_table[] | {lang_local, keyboard_types}
  ]
}
