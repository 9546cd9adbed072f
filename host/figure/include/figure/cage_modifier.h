// Modifiers that act on the posed cage as a whole.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzmodifier.h"
#include "dzweightmap.h"
#include "geometry/polygon_mesh.h"
#include "geometry/smoothing.h"

#include <vector>

class DzBoolProperty;
class DzFloatProperty;
class DzIntProperty;
class DzNumericProperty;

namespace openhost {

/// A cage on its way through the modifiers behind the skin; in the figure's space, cm.
struct CageShape {
    std::shared_ptr<const geometry::Topology> topology;
    base::Span<const geometry::Vec3f> rest; ///< before the skin
    std::vector<geometry::Vec3f> positions;
};

/// The pipeline runs these behind the skin, in the order of the stack.
class CageModifier : public DzModifier {
    Q_OBJECT
public:
    /// Whether it moves anything as its properties are now.
    virtual bool isActive() const = 0;
    /// Whether it waits for all that do not.
    virtual bool actsLast() const { return false; }
    /// @throws base::Error  it is not for this cage
    virtual void apply(CageShape& cage) const = 0;

protected:
    void propertyValueChanged(DzProperty* property) override;
    void changed(); ///< something that is no property
};

/// Takes the creases out of a cage. Collisions with other things are not evaluated.
class SmoothingModifier : public CageModifier {
    Q_OBJECT
public:
    SmoothingModifier();

    /// Whether its weight or rounds are held within what smoothing can do.
    bool exceedsLimits() const;
    bool isActive() const override;
    void apply(CageShape& cage) const override;

private:
    bool keepsShape() const;

    DzBoolProperty* _enabled;
    DzFloatProperty* _weight;
    DzIntProperty* _iterations;
    mutable std::shared_ptr<const geometry::Topology> _topology; ///< that the smoother is for
    mutable std::shared_ptr<const geometry::Smoother> _smoother;
};

/// Moves a cage out along its normals.
class PushModifier : public CageModifier {
    Q_OBJECT
public:
    PushModifier() = default;

    /// Which property says how far, in cm. The modifier owns it; null for none.
    void setDistanceControl(DzNumericProperty* distance);
    DzNumericProperty* getDistanceControl() const { return _distance; }
    DzWeightMap* getInfluenceWeights() const { return _weights; } ///< null for full weight everywhere
    void setInfluenceWeights(DzWeightMap* weights);
    void setActsLast(bool last);

    bool isActive() const override;
    bool actsLast() const override { return _actsLast; }
    void apply(CageShape& cage) const override;

private:
    DzNumericProperty* _distance = nullptr;
    DzWeightMapPtr _weights;
    bool _actsLast = false;
};

/// Cloth whose simulation another program has set up. Nothing is simulated.
class SimulationModifier : public DzModifier {
    Q_OBJECT
public:
    SimulationModifier();
};

} // namespace openhost
