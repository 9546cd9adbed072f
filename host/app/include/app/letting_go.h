// Objects that nobody owns any more, while others may still have them in their hands.
// SPDX-License-Identifier: MIT

#pragma once

class QObject;

namespace openhost {

/// Keeps what the host lets go of. A script may take an object away while the host tells of it, or while a
/// dialog runs the event loop; whoever called the script goes on with that object.
class Keeper {
public:
    virtual void keep(QObject& object) = 0;

protected:
    ~Keeper() = default;
};

/// The one that is asked; null for none, as it is at first.
Keeper* CurrentKeeper();
void SetCurrentKeeper(Keeper* keeper);

/// Deletes the object, which belongs to nobody, or leaves it to the keeper.
void LetGoOf(QObject* object);

} // namespace openhost
