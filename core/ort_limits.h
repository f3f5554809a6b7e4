/** @file
 * Every budget of the library, each with the attack that it stops.
 *
 * The values are defaults; a host changes the first two with ort_options (core/ort.h) and those of
 * entities, recording, nodes and depth with svg_set_limits (svg/svg.h). They are far above what any
 * real drawing needs.
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

/** Bytes that the reader keeps of what Expat reported in its first pass. It reads the input again
 * when that is not enough, or when less than two thirds of the memory budget are left. */
#define ORT_LIMIT_RECORDED (256ULL << 20)

/** General entities of one document that refer to others: Expat recurses from each into the next.
 */
#define ORT_LIMIT_NESTED_ENTITIES 100

/** Attributes that a document type may declare: each costs Expat a step in every start tag. What
 * their defaults add to start tags counts as growth by entities. */
#define ORT_LIMIT_ATTRIBUTE_DECLARATIONS 10000

/** Bytes of the name or the prefix of a namespace: Expat copies it for every attribute with that
 * prefix. */
#define ORT_LIMIT_NAMESPACE_NAME 1000

/** Element and text nodes of one tree: documents of endless tiny elements. */
#define ORT_LIMIT_NODES 50000000

/** Nesting depth of elements, skipped ones included: stacks that grow with the depth. */
#define ORT_LIMIT_DEPTH 4000000

/** Elements that one walk over a scene shows, those within references included: ten levels of ten
 * `use` each. */
#define ORT_LIMIT_EXPANDED 4000000

/** References within references (a pattern in a mask in a clip path) that one walk may follow, each
 * of which needs a walk of its own: the stack would grow with them. */
#define ORT_LIMIT_REFERENCE_DEPTH 64

/** Depth of \@import: style sheets that import each other. */
#define ORT_LIMIT_IMPORT_DEPTH 8
/** Sheets that one drawing's sheets may import in all. */
#define ORT_LIMIT_IMPORTS 256

/** Bytes of the name of an external sheet as written: each import is joined with it. A path of the
 * system is not longer. */
#define ORT_LIMIT_SHEET_NAME 4096

/** Steps that matching rules with elements may take: many rules of which each must be tried, or
 * matches, at each of many elements, or is kept in mind while they are open. A step is about 5
 * nanoseconds, and what is kept takes 2 a byte: so a drawing of 1 MB ends within 3 seconds, while
 * 500 rules that all match each of 90,000 elements stay below the limit. */
#define ORT_LIMIT_RULE_STEPS 500000000

/** Bytes of one external style sheet. */
#define ORT_LIMIT_STYLE_SHEET (16ULL << 20)

/** Bytes of one parameter inside a message: a token of a hundred megabytes must not become a
 * message. */
#define ORT_LIMIT_MESSAGE_PARAMETER 1000

#endif
