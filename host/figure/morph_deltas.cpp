// A morph's displacements, read when needed.
// SPDX-License-Identifier: MIT

#include "dzmorphdeltas.h"

#include "app/guard.h"
#include "base/errors.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzvertexmesh.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"
#include "scene/undo_recording.h"

#include <QPointer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// A value that is read from its file when first needed.
template <class T>
class Lazy {
public:
    using Loader = std::function<T(base::Diagnostics& lost)>;

    /// @param doing  as HostCall::doing
    explicit Lazy(const char* doing) : _doing(doing) {}

    bool isLoaded() const { return _isLoaded; }
    bool isReadable() const { return _isReadable; } ///< the last try to load succeeded
    const base::Diagnostics& lost() const { return _lost; }
    const T& present() const { return _value; } ///< empty where it is yet to be read

    T& get(const DzUri& uri)
    {
        if (!_isLoaded)
            load(uri);
        return _value;
    }
    /// To change it: then its file does not tell any more what it is.
    T& edit(const DzUri& uri)
    {
        get(uri);
        _loader = nullptr;
        return _value;
    }
    /// What is read from a file no longer counts.
    void assign(T value, base::Diagnostics lost = {})
    {
        _value = std::move(value);
        _lost = std::move(lost);
        _loader = nullptr;
        _isLoaded = true;
    }
    void setLoader(Loader loader)
    {
        _loader = std::move(loader);
        _isLoaded = !_loader;
        _value = T();
        _lost.clear();
    }
    void unload()
    {
        if (_loader)
            setLoader(_loader);
    }

private:
    void load(const DzUri& uri)
    {
        _isLoaded = true;
        const auto read = [this] {
            _value = _loader(_lost);
            openhost::Report(_lost);
            return true;
        };
        const auto lose = [this](const openhost::HostFailure& failure) {
            _lost = {failure.diagnostic};
            return false;
        };
        _isReadable = openhost::GuardHostCall(
            {uri.getFilePath().toStdString(), uri.getId().toStdString(), _doing, base::Severity::Warning},
            read, lose);
    }

    const char* _doing;
    T _value;
    Loader _loader;
    base::Diagnostics _lost;
    bool _isLoaded = true;
    bool _isReadable = true;
};

} // namespace

struct DzMorphDeltas::Impl {
    Lazy<geometry::SparseDeltas> deltas{"cannot load the deltas"};
    Lazy<geometry::MultiresDetail> detail{"cannot load the detail for subdivided meshes"};
    int vertexCount = 0;
    DzUri uri;
    std::vector<QPointer<DzMorph>> wearers; ///< the morphs whose displacements they are

    template <class Value>
    class Edit;
    /// To be called before one of the two values is changed.
    template <class Value>
    static void record(DzMorphDeltas& target, Lazy<Value> Impl::*value);

    const geometry::SparseDeltas& get() { return deltas.get(uri); }
    geometry::SparseDeltas& edit() { return deltas.edit(uri); }
    std::size_t place(int vertex)
    {
        const std::vector<std::uint32_t>& vertices = get().vertices;
        return static_cast<std::size_t>(
            std::lower_bound(vertices.begin(), vertices.end(), static_cast<std::uint32_t>(vertex)) -
            vertices.begin());
    }
    bool holds(std::size_t at, int vertex)
    {
        return at < get().size() && get().vertices[at] == static_cast<std::uint32_t>(vertex);
    }
};

namespace {

std::size_t BytesOf(const geometry::SparseDeltas& deltas)
{
    return deltas.size() * (sizeof(std::uint32_t) + sizeof(geometry::Vec3f));
}

std::size_t BytesOf(const geometry::MultiresDetail& detail)
{
    std::size_t bytes = 0;
    for (const geometry::DetailLevel& level : detail.levels)
        bytes += level.size() * (sizeof(std::uint32_t) + sizeof(geometry::Vec3f));
    return bytes;
}

} // namespace

/// The displacements or the detail in exchange for those that are there.
template <class Value>
class DzMorphDeltas::Impl::Edit : public openhost::Change {
public:
    Edit(DzMorphDeltas& target, DzMorph& wearer, Lazy<Value> Impl::*value)
        : _target(&target), _wearer(&wearer), _value(value), _other(target._impl.get()->*value)
    {
    }
    void undo() override { exchange(); }
    void redo() override { exchange(); }
    openhost::ChangeRank rank() const override { return openhost::ChangeRank::Morph; }
    QString caption() const override
    {
        return openhost::Captioned(openhost::captions::changeMorph,
                                   _wearer ? _wearer->getLabel() : QString());
    }
    std::size_t ownBytes() const override { return BytesOf(_other.present()); }

private:
    void exchange()
    {
        std::swap(_target->_impl.get()->*_value, _other);
        emit _target->deltasChanged();
        if (_wearer)
            emit openhost::Events().sceneEdited(openhost::SceneEdit::Morph, _wearer->getObject());
    }

    DzMorphDeltasPtr _target;
    QPointer<DzMorph> _wearer;
    Lazy<Value> Impl::*_value;
    Lazy<Value> _other;
};

template <class Value>
void DzMorphDeltas::Impl::record(DzMorphDeltas& target, Lazy<Value> Impl::*value)
{
    static const char kind = 0;
    for (const QPointer<DzMorph>& wearer : target._impl->wearers) {
        if (!wearer || !openhost::IsRecording(wearer))
            continue;
        // Their file may say something else by the time at which the step is taken back.
        (target._impl.get()->*value).get(target._impl->uri);
        if (openhost::IsFirstOf(&target, &kind))
            openhost::Record(std::make_unique<Edit<Value>>(target, *wearer, value));
        return;
    }
}

DzMorphDeltas::DzMorphDeltas() : _impl(new Impl) {}
DzMorphDeltas::~DzMorphDeltas() = default;

DzMorphDeltas* DzMorphDeltas::calculateDeltas(const DzVertexMesh* source, const DzVertexMesh* target,
                                              float tolerance)
{
    if (!source || !target || source->getNumVertices() != target->getNumVertices())
        return nullptr;
    geometry::SparseDeltas deltas =
        geometry::MakeDeltas(openhost::MeshAccess::mesh(*source).positions,
                             openhost::MeshAccess::mesh(*target).positions, tolerance);
    return deltas.empty() ? nullptr
                          : openhost::DeltasAccess::create(std::move(deltas), source->getNumVertices());
}

int DzMorphDeltas::addDelta(int vertex, const DzVec3& delta, bool)
{
    const geometry::Vec3f value = openhost::FromDz(delta);
    if (vertex < 0 || !geometry::IsFinite(value))
        return -1;
    Impl::record(*this, &Impl::deltas);
    const std::size_t at = _impl->place(vertex);
    geometry::SparseDeltas& deltas = _impl->edit();
    if (_impl->holds(at, vertex)) {
        deltas.deltas[at] = value;
    } else {
        deltas.vertices.insert(deltas.vertices.begin() + static_cast<std::ptrdiff_t>(at),
                               std::uint32_t(vertex));
        deltas.deltas.insert(deltas.deltas.begin() + static_cast<std::ptrdiff_t>(at), value);
    }
    emit deltasChanged();
    return static_cast<int>(at);
}

DzError DzMorphDeltas::addDeltas(const DzIntArray& vertices, const DzTArray<DzVec3>& deltas, bool)
{
    if (vertices.size() != deltas.size())
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    std::vector<std::pair<std::uint32_t, geometry::Vec3f>> all;
    const geometry::SparseDeltas& old = _impl->get();
    for (std::size_t i = 0; i < old.size(); ++i)
        all.emplace_back(old.vertices[i], old.deltas[i]);
    for (int i = 0; i < vertices.size(); ++i) {
        const geometry::Vec3f value = openhost::FromDz(deltas[i]);
        if (vertices[i] < 0 || !geometry::IsFinite(value))
            return DZ_ILLEGAL_ARGUMENT_ERROR;
        all.emplace_back(static_cast<std::uint32_t>(vertices[i]), value);
    }
    std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    geometry::SparseDeltas merged;
    for (std::size_t i = 0; i < all.size(); ++i) {
        // Of several for one vertex the last counts.
        if (i + 1 < all.size() && all[i + 1].first == all[i].first)
            continue;
        merged.vertices.push_back(all[i].first);
        merged.deltas.push_back(all[i].second);
    }
    openhost::DeltasAccess::assign(*this, std::move(merged));
    return DZ_NO_ERROR;
}

int DzMorphDeltas::getNumDeltas() const
{
    return static_cast<int>(_impl->get().size());
}

int DzMorphDeltas::getDeltaIndex(int index) const
{
    return index >= 0 && index < getNumDeltas() ? static_cast<int>(_impl->get().vertices[std::size_t(index)])
                                                : -1;
}

DzVec3 DzMorphDeltas::getDeltaVec(int index) const
{
    return index >= 0 && index < getNumDeltas() ? openhost::ToDz(_impl->get().deltas[std::size_t(index)])
                                                : DzVec3();
}

int DzMorphDeltas::getVertexDeltaIndex(int vertex) const
{
    if (vertex < 0)
        return -1;
    const std::size_t at = _impl->place(vertex);
    return _impl->holds(at, vertex) ? static_cast<int>(at) : -1;
}

DzError DzMorphDeltas::setDelta(int index, const DzVec3& delta)
{
    const geometry::Vec3f value = openhost::FromDz(delta);
    if (index < 0 || index >= getNumDeltas() || !geometry::IsFinite(value))
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    Impl::record(*this, &Impl::deltas);
    _impl->edit().deltas[static_cast<std::size_t>(index)] = value;
    emit deltasChanged();
    return DZ_NO_ERROR;
}

DzError DzMorphDeltas::removeVertex(int vertex)
{
    const int index = getVertexDeltaIndex(vertex);
    if (index < 0)
        return DZ_NOT_FOUND_ERROR;
    Impl::record(*this, &Impl::deltas);
    geometry::SparseDeltas& deltas = _impl->edit();
    deltas.vertices.erase(deltas.vertices.begin() + index);
    deltas.deltas.erase(deltas.deltas.begin() + index);
    emit deltasChanged();
    return DZ_NO_ERROR;
}

void DzMorphDeltas::removeAllDeltas()
{
    openhost::DeltasAccess::assign(*this, geometry::SparseDeltas());
}

int DzMorphDeltas::getTargetVertexCount() const
{
    return _impl->vertexCount;
}
void DzMorphDeltas::setTargetVertexCount(int count)
{
    _impl->vertexCount = std::max(0, count);
}
bool DzMorphDeltas::hasDeltas() const
{
    return getNumDeltas() > 0;
}
bool DzMorphDeltas::areDeltasLoaded() const
{
    return _impl->deltas.isLoaded();
}

bool DzMorphDeltas::loadDeltas()
{
    _impl->get();
    _impl->detail.get(_impl->uri);
    return _impl->deltas.isReadable() && _impl->detail.isReadable();
}

void DzMorphDeltas::unLoadDeltas()
{
    _impl->deltas.unload();
    _impl->detail.unload();
}

DzUri DzMorphDeltas::getUri() const
{
    return _impl->uri;
}
void DzMorphDeltas::setUri(const DzUri& uri)
{
    _impl->uri = uri;
}

namespace openhost {

const geometry::SparseDeltas& DeltasAccess::deltas(const DzMorphDeltas& deltas)
{
    return deltas._impl->get();
}

DzMorphDeltas* DeltasAccess::create(geometry::SparseDeltas deltas, int vertexCount)
{
    auto* const result = new DzMorphDeltas;
    result->_impl->deltas.assign(std::move(deltas));
    result->_impl->vertexCount = vertexCount;
    return result;
}

void DeltasAccess::assign(DzMorphDeltas& target, geometry::SparseDeltas deltas, base::Diagnostics lost)
{
    DzMorphDeltas::Impl::record(target, &DzMorphDeltas::Impl::deltas);
    target._impl->deltas.assign(std::move(deltas), std::move(lost));
    emit target.deltasChanged();
}

const base::Diagnostics& DeltasAccess::lostDeltas(const DzMorphDeltas& deltas)
{
    deltas._impl->get();
    return deltas._impl->deltas.lost();
}

const base::Diagnostics& DeltasAccess::lostDetail(const DzMorphDeltas& deltas)
{
    deltas._impl->detail.get(deltas._impl->uri);
    return deltas._impl->detail.lost();
}

void DeltasAccess::setLoader(DzMorphDeltas& target, Loader<geometry::SparseDeltas> loader)
{
    target._impl->deltas.setLoader(std::move(loader));
    emit target.deltasChanged();
}

void DeltasAccess::setWorn(DzMorphDeltas& target, DzMorph& wearer, bool isWorn)
{
    std::vector<QPointer<DzMorph>>& wearers = target._impl->wearers;
    const auto goes = [&](const QPointer<DzMorph>& other) { return !other || other == &wearer; };
    wearers.erase(std::remove_if(wearers.begin(), wearers.end(), goes), wearers.end());
    if (isWorn)
        wearers.emplace_back(&wearer);
}

std::size_t DeltasAccess::bytes(const DzMorphDeltas& deltas)
{
    return BytesOf(deltas._impl->deltas.present()) + BytesOf(deltas._impl->detail.present());
}

const geometry::MultiresDetail& DeltasAccess::detail(const DzMorphDeltas& deltas)
{
    return deltas._impl->detail.get(deltas._impl->uri);
}

void DeltasAccess::assignDetail(DzMorphDeltas& target, geometry::MultiresDetail detail)
{
    DzMorphDeltas::Impl::record(target, &DzMorphDeltas::Impl::detail);
    target._impl->detail.assign(std::move(detail));
    emit target.deltasChanged();
}

void DeltasAccess::setDetailLoader(DzMorphDeltas& target, Loader<geometry::MultiresDetail> loader)
{
    target._impl->detail.setLoader(std::move(loader));
    emit target.deltasChanged();
}

} // namespace openhost
