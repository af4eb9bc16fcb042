/* A library under the right file name that has not the function. */

int uniNamesList_nothing(void);

int uniNamesList_nothing(void) { return 0; }
