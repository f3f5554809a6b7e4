// process.h: what the tools do first.
#ifndef TOOLS_PROCESS_H
#define TOOLS_PROCESS_H

// Prepares for closed pipes and streams, and for lack of memory, which ends the process with a
// message in the tool's name.
void prepare_process(const char *name);

#endif
