/** @file
 * Every budget of the library, each with the attack that it stops.
 *
 * The values are defaults; a host changes the first two with ort_options (core/ort.h) and those of
 * entities, nodes and depth with svg_set_limits (svg/svg.h). They are far above what any real
 * drawing needs.
 */
#ifndef ORT_LIMITS_H
#define ORT_LIMITS_H

/** Bytes that one core may hold at a time: any input that makes the reader hoard memory. */
#define ORT_LIMIT_MEMORY (4ULL << 30)

/** Bytes that one gzip stream may inflate to: a gzip bomb (a kilobyte that becomes gigabytes). */
#define ORT_LIMIT_INFLATED (1ULL << 30)

/** Growth by entities that Expat tolerates, as a factor of the input read, once
 * ORT_LIMIT_ENTITY_START bytes were produced: "billion laughs" and quadratic entity expansion. */
#define ORT_LIMIT_ENTITY_FACTOR 16.0f
/** Bytes that entities may produce before the factor is looked at. */
#define ORT_LIMIT_ENTITY_START (1ULL << 20)

/** Element and text nodes of one tree: documents of endless tiny elements. */
#define ORT_LIMIT_NODES 50000000

/** Nesting depth of elements, skipped ones included: stacks that grow with the depth. */
#define ORT_LIMIT_DEPTH 4000000

/** Depth of \@import: style sheets that import each other. */
#define ORT_LIMIT_IMPORT_DEPTH 8
/** Sheets that one drawing's sheets may import in all. */
#define ORT_LIMIT_IMPORTS 256

/** Bytes of one external style sheet. */
#define ORT_LIMIT_STYLE_SHEET (16ULL << 20)

/** Bytes of one parameter inside a message: a token of a hundred megabytes must not become a
 * message. */
#define ORT_LIMIT_MESSAGE_PARAMETER 1000

#endif
