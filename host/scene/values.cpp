// Vectors, boxes, matrices, URIs and ids.
// SPDX-License-Identifier: MIT

#include "dzassetfileinfo.h"
#include "dzbox3.h"
#include "dzerror.h"
#include "dzguid.h"
#include "dzmatrix3.h"
#include "dzrotationorder.h"
#include "dzuri.h"

#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <cmath>

QString getErrorMessage(DzError error)
{
    switch (error) {
    case DZ_NO_ERROR:
        return QStringLiteral("The operation succeeded.");
    case DZ_ILLEGAL_ARGUMENT_ERROR:
        return QStringLiteral("An argument is not valid.");
    case DZ_NULL_POINTER_ERROR:
        return QStringLiteral("A required object is missing.");
    case DZ_DUPLICATE_NAME_ERROR:
        return QStringLiteral("The name is in use already.");
    case DZ_FILE_NOT_FOUND_ERROR:
        return QStringLiteral("The file does not exist.");
    case DZ_UNABLE_TO_OPEN_FILE_ERROR:
        return QStringLiteral("The file cannot be opened.");
    case DZ_INVALID_FILE_ERROR:
        return QStringLiteral("The file cannot be understood.");
    case DZ_NOT_FOUND_ERROR:
        return QStringLiteral("The object was not found.");
    case DZ_CYCLIC_REFERENCE_ERROR:
        return QStringLiteral("The objects would refer to each other in a cycle.");
    case DZ_OPERATION_FAILED_ERROR:
        return QStringLiteral("The operation failed.");
    case DZ_USER_CANCELLED_OPERATION:
        return QStringLiteral("The operation was cancelled by the user.");
    case DZ_CONTENT_FOLDER_NOT_FOUND_ERROR:
        return QStringLiteral("The content library does not exist.");
    case DZ_INVALID_VENDOR_NAME_ERROR:
        return QStringLiteral("The vendor name is empty or cannot be the name of a folder.");
    case DZ_INVALID_PRODUCT_NAME_ERROR:
        return QStringLiteral("The product name is empty or cannot be the name of a folder.");
    default:
        return QStringLiteral("Unknown error (%1).").arg(error);
    }
}

float DzVec3::length() const
{
    return std::sqrt(lengthSquared());
}

DzVec3 DzVec3::normalized() const
{
    const float size = length();
    return size > 0.0f ? *this * (1.0f / size) : *this;
}

DzBox3::DzBox3() : _min(INFINITY, INFINITY, INFINITY), _max(-INFINITY, -INFINITY, -INFINITY) {}

void DzBox3::include(const DzVec3& point)
{
    for (int axis = 0; axis < 3; ++axis) {
        _min[axis] = std::min(_min[axis], point[axis]);
        _max[axis] = std::max(_max[axis], point[axis]);
    }
}

void DzBox3::include(const DzBox3& box)
{
    if (!box.isValid())
        return;
    include(box.getMin());
    include(box.getMax());
}

void DzBox3::translate(const DzVec3& offset)
{
    if (!isValid())
        return;
    _min += offset;
    _max += offset;
}

DzMatrix3::DzMatrix3() : _m{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}} {}

DzVec3 DzMatrix3::multVec(const DzVec3& v) const
{
    DzVec3 result;
    for (int row = 0; row < 3; ++row)
        result[row] = static_cast<float>(_m[row][0] * v.m_x + _m[row][1] * v.m_y + _m[row][2] * v.m_z);
    return result;
}

namespace {

const char* const rotationOrders[] = {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"};

} // namespace

QString DzRotationOrder::toString() const
{
    return QLatin1String(rotationOrders[_order]);
}

bool DzRotationOrder::fromString(const QString& text)
{
    for (int i = 0; i < 6; ++i) {
        if (text == QLatin1String(rotationOrders[i])) {
            _order = static_cast<Order>(i);
            return true;
        }
    }
    return false;
}

DzGuid DzGuid::fromString(const QString& text)
{
    static const QRegularExpression form(
        QStringLiteral("^\\{[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}\\}$"));
    DzGuid guid;
    if (form.match(text).hasMatch())
        guid._text = text.toLower();
    return guid;
}

namespace {

QString Decoded(const QString& text)
{
    return QUrl::fromPercentEncoding(text.toUtf8());
}

/// Cuts off what follows the first mark and returns it.
QString TakeAfter(QString& text, QChar mark)
{
    const int position = text.indexOf(mark);
    if (position < 0)
        return QString();
    const QString rest = text.mid(position + 1);
    text.truncate(position);
    return rest;
}

} // namespace

DzUri::DzUri(const QString& uri) : _text(uri)
{
    QString rest = uri;
    _propertyPath = Decoded(TakeAfter(rest, QLatin1Char('?')));
    _id = Decoded(TakeAfter(rest, QLatin1Char('#')));
    const int authority = rest.indexOf(QLatin1String("://"));
    if (authority >= 0) {
        _scheme = rest.left(authority);
        rest = rest.mid(authority + 3);
    }
    const int colon = rest.indexOf(QLatin1Char(':'));
    if (colon >= 0) {
        _nodePath = Decoded(rest.left(colon));
        rest = rest.mid(colon + 1);
    } else if (authority >= 0) {
        _nodePath = Decoded(rest);
        rest.clear();
    }
    _filePath = Decoded(rest);
}
