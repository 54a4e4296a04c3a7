#include "StageTransfer.h"

namespace StageTransfer {

const QStringList &keys()
{
    static const QStringList list {Key::Stop,    Key::BackTwo, Key::BackOne,   Key::Repeat,
                                   Key::NextOne, Key::NextTwo, Key::MaxRepeats};
    return list;
}

} // namespace StageTransfer
