/* No plug-in library at all, though it depends on one whose entries a careless look-up finds. */
int vlUnrelated(void);
int vlUnrelated(void) {
    return 0;
}
