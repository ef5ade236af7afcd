// A service that ends as soon as it has started: linked with the library, and with an empty one in its place.
#include "csi.h"

int main()
{
    uint32_t value = 0;
    ZVCSIListener::GetInstance().GetCSIValue(0, value);
    return 0;
}
