// The forms that a row can have. A user of rows defines those it looks at, and each of the others is what it is a case
// of, in the end nothing: who defines NODE alone sees every container, list and leaf. Every file of rows begins with
// this and ends with end_of_rows.h.
#ifndef NODE
#define NODE(walker, parent, tag)
#endif

#ifndef CONTAINER
#define CONTAINER(walker, parent, tag) NODE(walker, parent, tag)
#endif
#ifndef CONTAINER_TO
#define CONTAINER_TO(walker, parent, tag, translation) CONTAINER(walker, parent, tag)
#endif
#ifndef CONTAINER_UNMAPPED
#define CONTAINER_UNMAPPED(walker, parent, tag) CONTAINER(walker, parent, tag)
#endif

#ifndef LIST
#define LIST(walker, parent, tag, key, path) NODE(walker, parent, tag)
#endif
#ifndef LIST_UNMAPPED
#define LIST_UNMAPPED(walker, parent, tag, key, path) LIST(walker, parent, tag, key, path)
#endif

#ifndef LEAF
#define LEAF(walker, parent, tag) NODE(walker, parent, tag)
#endif
#ifndef LEAF_TO
#define LEAF_TO(walker, parent, tag, translation) LEAF(walker, parent, tag)
#endif
#ifndef LEAF_UNMAPPED
#define LEAF_UNMAPPED(walker, parent, tag) LEAF(walker, parent, tag)
#endif

// What is no node of a model below another one.
#ifndef DEFAULT_HANDLERS
#define DEFAULT_HANDLERS()
#endif
#ifndef ENTRY
#define ENTRY(name)
#endif
#ifndef ROOT
#define ROOT(walker)
#endif
#ifndef SECOND_WALKER
#define SECOND_WALKER(row, walker)
#endif
