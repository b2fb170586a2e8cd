// Gives the precompiled headers a translation unit to be built with.
