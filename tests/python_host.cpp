// What the plug-in takes from its host, for a Python process that loads it.
#include "data_provider.h"

void init_data_provider_cbs(data_provider_cbs* table) { *table = {}; }
