#pragma once

#include "maths/CMaVector.h"

/// A dense matrix of one to three rows and columns, indexed from 0, all zero after construction. It allocates no
/// memory. A size outside 1 to 3, an index outside the matrix, and the product of a matrix that is not 3 x 3 with a
/// vector throw GeometryError (Impossible).
class CMaMatrix : public CMaObject {
public:
    CMaMatrix(int theRows, int theColumns) : rows(theRows), columns(theColumns) {
        Require(rows >= 1 && rows <= 3 && columns >= 1 && columns <= 3);
    }

    void SetElement(int row, int column, double value) {
        Require(row >= 0 && row < rows && column >= 0 && column < columns);
        elements[row][column] = value;
    }

    /// The matrix times the column `v`: element i is M[i][0] v[0] + M[i][1] v[1] + M[i][2] v[2], added in that order.
    CMaVector operator*(const CMaVector& v) const {
        Require(rows == 3 && columns == 3);
        const double x = v[0], y = v[1], z = v[2];
        const auto element = [&](int row) {
            return elements[row][0] * x + elements[row][1] * y + elements[row][2] * z;
        };
        return {element(0), element(1), element(2)};
    }

private:
    static void Require(bool condition) {
        if (!condition) throw qmv40::GeometryError(qmv40::GeometryError::Reason::Impossible);
    }

    int rows;
    int columns;
    double elements[3][3] = {};
};
