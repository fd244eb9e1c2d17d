#include "interface/ErrorCodes.h"
#include "maths/CQuaternion.h"
#include "tests/support/ErrorRecord.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace qmv40;

/// Which operation and step a quaternion names when its vector or its matrix fails, and the order in which it writes
/// the elements. This program replaces the vector and the matrix by its own.

namespace {

struct Matrix {
    std::vector<std::string> written; ///< "row,column"
    int failingWrite = 0;             ///< counted from 1; 0: none
} matrix;

int failingRead = -1; ///< the component of a vector that cannot be read; -1: none

} // namespace

double CMaVector::operator[](int index) const {
    if (index == failingRead) throw GeometryError(GeometryError::Reason::Impossible);
    return 0.0;
}

void CMaMatrix::SetElement(int row, int column, double) {
    matrix.written.push_back(std::to_string(row) + ',' + std::to_string(column));
    if (static_cast<int>(matrix.written.size()) == matrix.failingWrite)
        throw GeometryError(GeometryError::Reason::Impossible);
}
CMaVector CMaMatrix::operator*(const CMaVector& v) const { return v; }

namespace {

class QuaternionSteps : public testing::Test {
protected:
    QuaternionSteps() { Restore(); }
    ~QuaternionSteps() override { Restore(); }

    static void Restore() {
        matrix = {};
        failingRead = -1;
    }

    static void ExpectNamed(const Raised& raised, const wchar_t* source, const wchar_t* description) {
        EXPECT_EQ(raised.code, QMV_E_GEOMETRY_IMPOSSIBLE);
        ASSERT_TRUE(raised.record);
        EXPECT_EQ(raised.record->source, source);
        EXPECT_EQ(raised.record->description, description);
        EXPECT_EQ(raised.record->helpFile, L"Unspecified");
    }
};

TEST_F(QuaternionSteps, NameTheConstructorWhileTheMatrixIsFilled) {
    matrix.failingWrite = 2;
    ExpectNamed(RaisedBy([] { const CQuaternion quaternion; }), L"CQuaternion::CQuaternion",
                L"Error initialising matrix with default data.");
}

TEST_F(QuaternionSteps, NameTheInitialisationWhileTheDirectionIsRead) {
    CQuaternion quaternion;
    for (failingRead = 0; failingRead < 3; ++failingRead)
        ExpectNamed(RaisedBy([&] { quaternion.InitialiseFromAngleAndDirection(1.0, CMaVector(1.0, 0.0, 0.0)); }),
                    L"CQuaternion::InitialiseFromAngleAndDirection", L"Error extracting data from direction vector");
}

// CalculateRotationMatrix always names its usual caller: this is required.
TEST_F(QuaternionSteps, NameTheInitialisationWhileTheMatrixIsCalculated) {
    CQuaternion quaternion;
    for (int write = 1; write <= 9; ++write) {
        matrix = {.written = {}, .failingWrite = write};
        ExpectNamed(RaisedBy([&] { quaternion.CalculateRotationMatrix(); }),
                    L"CQuaternion::InitialiseFromAngleAndDirection", L"Error calculating rotation matrix");
        matrix = {.written = {}, .failingWrite = write};
        ExpectNamed(RaisedBy([&] { quaternion.SetComponents(1.0, 0.0, 0.0, 0.0); }),
                    L"CQuaternion::InitialiseFromAngleAndDirection", L"Error calculating rotation matrix");
    }
}

TEST_F(QuaternionSteps, WriteTheElementsInTheRequiredOrder) {
    CQuaternion quaternion;
    EXPECT_EQ(matrix.written, (std::vector<std::string>{"0,0", "1,1", "2,2"}));
    matrix = {};
    quaternion.CalculateRotationMatrix();
    EXPECT_EQ(matrix.written,
              (std::vector<std::string>{"0,0", "1,1", "2,2", "0,1", "1,0", "0,2", "2,0", "1,2", "2,1"}));
}

} // namespace
