/* Result codes of the mapping framework: the 32-bit `cerrno` and the six failures that a mapping plug-in uses. */
#ifndef YFW_CERRNO_H
#define YFW_CERRNO_H

#include <stdint.h>

/* Result of every mapping function. 0 is success. Codes are compared for equality only, never taken apart. */
typedef uint32_t cerrno;

/* A required argument is null, a delete carries a subtree, or a translation step failed. */
#define CERR_INVALID_ARGS UINT32_C(0xaaf2a000)

/* The request tree is malformed: children announced but absent, or a child without a tag. */
#define CERR_BAD_TREE UINT32_C(0xaaf29e00)

/* The request names an element that the plug-in does not map; its tag is in `error_tag`. */
#define CERR_UNSUPPORTED UINT32_C(0xaaf2ee00)

/* An edit carries a value that is refused; the text for the requester is in `error_message`. */
#define CERR_INVALID_VALUE UINT32_C(0xaaf2f400)

/* From a container or list handler: the node is done, its children must not be walked. */
#define CERR_SKIP_SUBTREE UINT32_C(0xaaf2f600)

/* An augment hook met a child of no known augmentation in an add request; its tag is in `error_tag`. */
#define CERR_UNKNOWN_AUGMENT UINT32_C(0xaaf2f800)

#endif
