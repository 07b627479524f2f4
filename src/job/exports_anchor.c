/* exports_anchor.c - gives the shared library a source of its own; the eight exports
   themselves live in ormida_core (job/Exports.cpp) and are linked in whole. */
#include "ormida/ormida.h"
