/* Gives resource-only libraries an object to link. */
typedef int vt_empty;
