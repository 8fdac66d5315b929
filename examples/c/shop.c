#include <pavonix/pavonix.h>
#include <stdio.h>

int main(void)
{
    GoodListRequest page = {0, 0, 1, 0, 0, 0, 10}; /* the first ten goods of type 1 */
    int status = GetGoodListXml(L"shop\\profile", &page, L"shop\\list.xml", 1, L"http://127.0.0.1/shop/list", 8080);
    printf("%s (%d)\n", status == PAVONIX_OK ? "stored" : "not stored", status);
    return status == PAVONIX_OK ? 0 : 1;
}
