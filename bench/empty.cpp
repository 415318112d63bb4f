// An empty library with the dependencies of the plug-in: loading it is the floor of loading.
