#include "XPFactorySettings.h"

int main()
{
    return 0;
}
