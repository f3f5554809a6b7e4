// schema.h: --schema.
#ifndef TOOLS_SCHEMA_H
#define TOOLS_SCHEMA_H

#include <cstdio>

// Writes the reader's tables as one JSON object, on one line unless pretty.
void print_schema(FILE *out, bool pretty);

#endif
