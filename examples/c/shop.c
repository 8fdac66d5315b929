/* Stores a page of the catalogue. 200 is the server's status; it does not mean that
 * the file is complete, so the file is checked.
 */
#include <pavonix/pavonix.h>
#include <stdio.h>
#include <string.h>

/* Returns whether the file ends with the tag that closes its root element. */
static int is_complete(const char *file, const char *tag)
{
    char end[65] = "";
    FILE *stored = fopen(file, "rb");
    if (stored == NULL) {
        return 0;
    }
    if (fseek(stored, -64, SEEK_END) != 0) {
        rewind(stored); /* the file is shorter */
    }
    end[fread(end, 1, 64, stored)] = 0;
    fclose(stored);
    return strstr(end, tag) != NULL;
}

int main(void)
{
    GoodListRequest page = {0, 0, 1, 0, 0, 0, 10}; /* the first ten goods of type 1 */
    int status = GetGoodListXml(L"sample.profile", &page, L"list.xml", 1, L"http://127.0.0.1/shop/list", 8080);
    if (status != PAVONIX_OK) {
        printf("not stored: the call returned %d\n", status);
        return 1;
    }
    if (!is_complete("list.xml", "</goods>")) {
        printf("list.xml is missing or incomplete, though the status was 200\n");
        return 1;
    }
    printf("stored list.xml\n");
    return 0;
}
