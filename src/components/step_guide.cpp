// StepGuide.clsStepGuide: without the suite no whole-floor calculation runs,
// so it is never running and its window was never minimised.

#include "components/standalone.h"
#include "seluvorne/member_table.h"

namespace seluvorne::components {

namespace {

class StepGuide : public DispatchImpl<StepGuide> {
 public:
  static const MemberTable<StepGuide>& Members() {
    static const auto table = MemberTable<StepGuide>("clsStepGuide")
                                  .get("isAllCalc", &StepGuide::isAllCalc)
                                  .get("GetAllCalcWindowStateLastVal_isMinimized",
                                       &StepGuide::GetAllCalcWindowStateLastVal_isMinimized);
    return table;
  }

  bool isAllCalc() const { return false; }
  bool GetAllCalcWindowStateLastVal_isMinimized() const { return false; }
};

}  // namespace

Object NewStepGuide() {
  return std::make_shared<StepGuide>();
}

}  // namespace seluvorne::components
