// Only here so that there is something to compile precompiled headers for.
