// Morph Loader Pro: a list of morphs.
// SPDX-License-Identifier: MIT

#include "tools/morph_loader_batch.h"

#include "dzfileiosettings.h"
#include "dznode.h"
#include "tools/morph_loader.h"

#include <QFile>
#include <QFileInfo>

DzMorphLoaderBatch::DzMorphLoaderBatch() = default;
DzMorphLoaderBatch::~DzMorphLoaderBatch() = default;

QString DzMorphLoaderBatch::createMorphs(DzFileIOSettings* settings, DzNode* node, bool onlyErrorsOrWarnings,
                                         bool plainText)
{
    DzNode* const target = node ? node : getNode();
    QStringList texts;
    for (DzMorphLoader* const morph : QList<DzMorphLoader*>(_morphs)) {
        if (_usePreset)
            morph->readObjectCommonSettingsFromConfigFile(_presetFile);
        DzVertexMeshPtr mesh;
        for (const auto& entry : _meshes)
            if (entry.first == morph)
                mesh = entry.second;
        const QString text = mesh ? morph->createMorphFromMesh(mesh, target, onlyErrorsOrWarnings, plainText)
                                  : morph->createMorph(settings, target, onlyErrorsOrWarnings, plainText);
        if (!text.isEmpty())
            texts << text;
    }
    return texts.join(QLatin1Char('\n'));
}

void DzMorphLoaderBatch::addMorph(DzMorphLoader* morph)
{
    if (!morph || _morphs.contains(morph))
        return;
    _morphs << morph;
    connect(morph, SIGNAL(destroyed(QObject*)), this, SLOT(handleMorphDestroyed(QObject*)));
    emit morphAdded(morph);
    emit morphListChanged();
}

int DzMorphLoaderBatch::getNumMorphs() const
{
    return _morphs.size();
}

DzMorphLoader* DzMorphLoaderBatch::getMorph(int index) const
{
    return _morphs.value(index);
}

int DzMorphLoaderBatch::findMorph(DzMorphLoader* morph) const
{
    return _morphs.indexOf(morph);
}

void DzMorphLoaderBatch::clear()
{
    while (!_morphs.isEmpty())
        removeMorph(_morphs.last());
}

bool DzMorphLoaderBatch::moveMorph(DzMorphLoader* morph, bool up)
{
    const int from = _morphs.indexOf(morph);
    const int to = up ? from - 1 : from + 1;
    if (from < 0 || to < 0 || to >= _morphs.size())
        return false;
    _morphs.move(from, to);
    emit morphMoved(from, to);
    emit morphListChanged();
    return true;
}

bool DzMorphLoaderBatch::removeMorph(DzMorphLoader* morph)
{
    const int index = _morphs.indexOf(morph);
    if (index < 0)
        return false;
    disconnect(morph, SIGNAL(destroyed(QObject*)), this, SLOT(handleMorphDestroyed(QObject*)));
    forget(index);
    emit morphRemoved(morph, index);
    emit morphListChanged();
    // Loaders that the batch made itself go with their entry.
    if (morph->parent() == this)
        morph->deleteLater();
    return true;
}

DzMorphLoader* DzMorphLoaderBatch::addFromFile(const QString& file)
{
    auto* const morph = new DzMorphLoader;
    morph->setParent(this);
    morph->setFilename(file);
    morph->setMorphName(QFileInfo(file).completeBaseName());
    morph->setDisplayName(morph->getMorphName());
    addMorph(morph);
    return morph;
}

void DzMorphLoaderBatch::addFromFiles(const QStringList& files)
{
    for (const QString& file : files)
        addFromFile(file);
}

DzMorphLoader* DzMorphLoaderBatch::addFromMesh(DzVertexMesh* mesh)
{
    if (!mesh)
        return nullptr;
    auto* const morph = new DzMorphLoader;
    morph->setParent(this);
    morph->setMorphName(mesh->getName());
    _meshes << qMakePair(morph, DzVertexMeshPtr(mesh));
    addMorph(morph);
    return morph;
}

bool DzMorphLoaderBatch::addFromConfigFile(const QString& file)
{
    QFile stream(file);
    DzFileIOSettings all;
    if (!stream.open(QIODevice::ReadOnly) || !all.fromString(QString::fromUtf8(stream.readAll())))
        return false;
    const QString prefix = QLatin1String("Object:");
    for (int i = 0; i < all.getNumValues(); ++i) {
        if (!all.getKey(i).startsWith(prefix))
            continue;
        DzMorphLoader* const morph = addFromFile(QString());
        morph->readObjectCommonSettingsFromConfigFile(file);
        morph->readObjectSettingsFromConfigFile(file, all.getKey(i).mid(prefix.size()));
    }
    return true;
}

bool DzMorphLoaderBatch::saveProjectSettingsToConfigFile(const QString& file, bool common, bool objects)
{
    bool isSaved = true;
    for (int i = 0; i < _morphs.size(); ++i) {
        if (common && i == 0)
            isSaved = _morphs[i]->saveObjectSettingsToConfigFile(file, QString(), true);
        if (objects)
            isSaved = _morphs[i]->saveObjectSettingsToConfigFile(file, _morphs[i]->getMorphName(), false) &&
                      isSaved;
    }
    return isSaved;
}

void DzMorphLoaderBatch::setNode(DzNode* node)
{
    _node = node;
}

DzNode* DzMorphLoaderBatch::getNode() const
{
    return qobject_cast<DzNode*>(_node.data());
}

void DzMorphLoaderBatch::handleMorphDestroyed(QObject* morph)
{
    // Only the address is compared: the loader itself is gone.
    for (int i = 0; i < _morphs.size(); ++i)
        if (static_cast<QObject*>(_morphs[i]) == morph)
            forget(i);
}

void DzMorphLoaderBatch::forget(int index)
{
    const DzMorphLoader* const morph = _morphs.takeAt(index);
    for (int i = _meshes.size(); i-- > 0;)
        if (_meshes[i].first == morph)
            _meshes.removeAt(i);
}
