/* The headers of the boundary and of the platform are C11, each on its own. */
#include "data_provider.h"
#include "devinfo.h"
#include "kvreg.h"
#include "qlog.h"
