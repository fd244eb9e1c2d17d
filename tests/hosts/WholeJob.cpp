#include "hosts/WholeJob.h"

void WholeJob::Do(const Server& server, Answers& answers) {
    answers = Answers{};
    IQMVCalculator2* const calculator = server.Create();
    answers.refused[0] = ThrownByCalculateMove(*calculator, 45.0, 90.0, &answers.plan);
    answers.refused[1] = calculator->GetStartPosition(&answers.start);
    Expect(calculator->EnterHeadGeometry(aPoints.Address(), bPoints.Address()) == S_OK, "a geometry is entered");
    Expect(calculator->GetPoleSpherePosition(&answers.pole) == S_OK, "the pole sphere has a position");
    Expect(calculator->SetCurrentHeadPosition(15.0, -30.0) == S_OK, "a position is set");
    Expect(calculator->GetStartPosition(&answers.start) == S_OK, "an indexing has a start");
    Expect(ThrownByCalculateMove(*calculator, 60.0, 135.0, &answers.plan) == S_OK, "a plan is made");
    Expect(calculator->GetCurrentHeadPosition(&answers.a, &answers.b) == S_OK, "the position is known");
    Expect(calculator->SaveHeadGeometryToFile(fileName.Address()) == S_OK, "the geometry is saved");
    Expect(calculator->LoadHeadGeometryFromFile(fileName.Address()) == S_OK, "the geometry is loaded");
    Expect(ThrownByCalculateMove(*calculator, 15.0, -30.0, &answers.planBack) == S_OK, "the way back is planned");
    answers.refused[2] = calculator->SetCurrentHeadPosition(7.0, 0.0);
    answers.refused[3] = ThrownByCalculateMove(*calculator, 15.0, -30.0, nullptr);
    calculator->Release();
}

bool Same(const Answers& one, const Answers& other) { return memcmp(&one, &other, sizeof one) == 0; }
