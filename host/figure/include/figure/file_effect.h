// What a file says of a modifier that is neither morph nor dial.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"
#include "dznumericproperty.h"

#include <map>
#include <string>

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>

class DzModifier;

namespace openhost {

/// Kept with the modifier, so that saving it loses nothing that the host has no use for.
class FileEffect : public QObject {
    Q_OBJECT
public:
    /// The modifier owns it from then on.
    FileEffect(dson::Effect effect, DzModifier& owner);
    /// Null for a modifier that no file has described.
    static FileEffect* of(const DzModifier& modifier);

    const dson::Effect& described() const { return _effect; }
    /// Takes over what an instance says that the definition does not, but for its influence weights.
    void supplement(const dson::Effect& instance);
    /// Those of an instance, which count in place of the definition's.
    void setInfluence(const dson::InfluenceMap& map) { _effect.influence = map; }
    /// The present influence weights are in no file that the modifier comes from.
    bool hasNewInfluence() const { return _hasNewInfluence; }
    void setHasNewInfluence() { _hasNewInfluence = true; }

    /// The modifier's property of that name, in whatever case; null for none.
    DzNumericProperty* findNamed(const std::string& name) const;
    /// Which property stands for a channel of the file.
    void enter(const dson::Channel& channel, DzNumericProperty& property);
    DzNumericProperty* find(const std::string& idOrName) const; ///< null for none
    /// A value that is not one number, of a channel that has no property.
    void keep(const dson::Channel& channel);
    bool keeps(const std::string& id) const;
    /// As the definition lists it; null for what it does not list.
    const dson::Channel* describedChannel(const std::string& id) const;
    /// JSON text of what an instance says of the modifier's own channel, where that is such a value.
    const std::string& ownChannel() const { return _ownChannel; }
    void setOwnChannel(const std::string& json) { _ownChannel = json; }
    /// The dial of the modifier itself, which no `extra` lists; null for none.
    DzNumericProperty* own() const { return _own; }
    void setOwn(DzNumericProperty& dial) { _own = &dial; }
    /// What is described, with the properties' values as they are now; without the own dial's.
    dson::Effect present() const;

private:
    dson::Effect _effect;
    bool _hasNewInfluence = false;
    QPointer<DzNumericProperty> _own;
    std::string _ownChannel;
    std::map<std::string, dson::Channel> _kept;               ///< by id
    std::map<std::string, DzNumericProperty*> _byId, _byName; ///< the modifier's
    QHash<QString, QPointer<QObject>> _byFoldedName;          ///< also those that no file has entered
};

} // namespace openhost
