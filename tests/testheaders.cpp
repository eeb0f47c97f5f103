// Only here so that there is something to compile the precompiled headers for.
