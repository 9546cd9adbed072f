// Result codes of host operations.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// 0 is success; every other number is a failure.
typedef int DzError;

enum {
    DZ_NO_ERROR = 0,
    DZ_ILLEGAL_ARGUMENT_ERROR = 1,
    DZ_NULL_POINTER_ERROR = 2,
    DZ_DUPLICATE_NAME_ERROR = 3,
    DZ_FILE_NOT_FOUND_ERROR = 4,
    DZ_UNABLE_TO_OPEN_FILE_ERROR = 5,
    DZ_INVALID_FILE_ERROR = 6,
    DZ_NOT_FOUND_ERROR = 7,
    DZ_CYCLIC_REFERENCE_ERROR = 8,
    DZ_OPERATION_FAILED_ERROR = 98,
    DZ_USER_CANCELLED_OPERATION = 100,
    DZ_CONTENT_FOLDER_NOT_FOUND_ERROR = 201,
    DZ_INVALID_VENDOR_NAME_ERROR = 202,
    DZ_INVALID_PRODUCT_NAME_ERROR = 203
};

/// A short sentence for people; a code without a text of its own is named by its number.
QString getErrorMessage(DzError error);
