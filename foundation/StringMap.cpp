#include "StringMap.h"

#include <QMetaType>

int registerStringMapType()
{
    static const int id = qRegisterMetaType<StringMap>("StringMap");
    return id;
}
