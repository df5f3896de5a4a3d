"""zep.Schedule from Python: keyword arguments, the rolled dates on a named calendar, bad rules."""
import pytest

import zep


def test_a_long_front_stub_on_target_rolls_and_fixes_by_business_days():
    schedule = zep.Schedule("2024-01-10", "2025-03-15", "6M", "TARGET", stub=1, paymentLagDays=2)
    assert len(schedule) == 2
    # 15 Sep 2024 is a Sunday, 15 Mar 2025 a Saturday: both roll to the Monday after.
    assert [str(d) for d in schedule.AccrualEndDates()] == ["16/09/2024", "17/03/2025"]
    assert [str(d) for d in schedule.PaymentDates()] == ["18/09/2024", "19/03/2025"]
    assert [str(d) for d in schedule.FixingDates()] == ["08/01/2024", "12/09/2024"]
    assert schedule.AccrualFractions() == pytest.approx([250 / 360, 182 / 360], rel=1e-15)


@pytest.mark.parametrize("keywords, error, message", [
    ({"generation": 3}, ValueError, "generation must be 0, 1 or 2"),
    ({"stub": 2}, ValueError, r"stub must be 0 \(short\) or 1 \(long\)"),
    ({"tenor": "0M"}, RuntimeError, "Schedule: tenor must be positive"),
])
def test_bad_rules_are_refused(keywords, error, message):
    with pytest.raises(error, match=message):
        zep.Schedule("2024-01-10", "2025-03-15", **keywords)
