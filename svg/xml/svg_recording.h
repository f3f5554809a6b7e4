// svg_recording.h: the events of the style-sheet pass, for the main pass.
#ifndef SVG_RECORDING_H
#define SVG_RECORDING_H

#include "svg/parser/svg_parser.h"

void svg_recording_begin(svg_parser *p); // sets Expat's handlers; drops what was recorded
// Once, unless p->recording is null. False: it was given up, and Expat's first p->to_skip callbacks
// have been made.
bool svg_recording_play(svg_parser *p);
void svg_recording_delete(svg_parser *p);

#endif
