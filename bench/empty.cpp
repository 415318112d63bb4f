// The floor of loading: a library of nothing, with the dependencies of the plug-in.
