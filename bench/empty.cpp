// An empty library with the dependencies of the plug-in. Loading it measures the minimum cost of
// loading a plug-in.
