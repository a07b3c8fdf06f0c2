// A library takes a source; this one is there for its precompiled header.
