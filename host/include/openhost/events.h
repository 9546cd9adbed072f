// What happens in the host, told to whoever connects.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class DzElement;
class QString;

namespace openhost {

/// What was done to something of the scene; nodes that come and go are told by the scene itself.
enum class SceneEdit { Label, Value, Morph, Transfer };

/// Told after the fact, in the thread that did it. What is said here can be heard by many and refused by
/// none.
class HostEvents : public QObject {
    Q_OBJECT
public:
    HostEvents();
    ~HostEvents();

signals:
    /// What progress displays show from now on.
    void progressTextShown(const QString& text);
    /// Something of a file does not come into the scene that is being made of it.
    void contentLeftOut(const QString& file, const QString& what);
    /// An element has got another label, another value for one of its properties, a morph, or what another
    /// one has handed over to it. It may be on its way into the scene, or be the view's own camera.
    void sceneEdited(openhost::SceneEdit edit, DzElement* element);
};

/// The running application's; without one, an object that nobody listens to.
HostEvents& Events();

} // namespace openhost
