// Forgets the row forms, so that the same rows can be read again as something else.
#undef NODE
#undef CONTAINER
#undef CONTAINER_TO
#undef CONTAINER_UNMAPPED
#undef LIST
#undef LIST_UNMAPPED
#undef LEAF
#undef LEAF_TO
#undef LEAF_UNMAPPED
#undef DEFAULT_HANDLERS
#undef ENTRY
#undef ROOT
#undef SECOND_WALKER
