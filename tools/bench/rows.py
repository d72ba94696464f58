"""A line of the report, and how it stands against its budget."""

import statistics
from dataclasses import dataclass

OK = "ok"
MISSED = "missed"


@dataclass(frozen=True)
class Row:
    """The driver beside its floor. Numbers are in `unit`, the least ones those of the best round."""

    name: str
    unit: str
    driver: float
    floor: float | None = None
    driver_min: float | None = None
    floor_min: float | None = None
    budget: float | None = None  # the largest ratio that is in order
    # Where the budget is a number of the driver's alone, such as no allocation.
    limit: float | None = None

    @property
    def ratio(self) -> float | None:
        """Driver to floor by their medians."""
        return self.driver / self.floor if self.floor else None

    @property
    def best_ratio(self) -> float | None:
        """The same by the best round of each."""
        if not self.floor_min or self.driver_min is None:
            return None
        return self.driver_min / self.floor_min

    @property
    def verdict(self) -> str:
        """OK, MISSED, or empty where there is no budget."""
        if self.limit is not None:
            return OK if self.driver <= self.limit else MISSED
        if self.budget is None or self.ratio is None:
            return ""
        return OK if self.ratio <= self.budget else MISSED

    def as_json(self) -> dict:
        return {"name": self.name, "unit": self.unit, "driver": self.driver, "floor": self.floor,
                "driver_min": self.driver_min, "floor_min": self.floor_min, "ratio": self.ratio,
                "best_ratio": self.best_ratio, "budget": self.budget, "limit": self.limit,
                "verdict": self.verdict}

    @staticmethod
    def from_json(data: dict) -> "Row":
        return Row(**{key: data[key] for key in ("name", "unit", "driver", "floor", "driver_min",
                                                 "floor_min", "budget", "limit")})


def of_numbers(name: str, unit: str, driver: list[float], floor: list[float] | None = None,
               budget: float | None = None) -> Row:
    """A row of what was measured in each round."""
    return Row(name, unit, statistics.median(driver), statistics.median(floor) if floor else None,
               min(driver), min(floor) if floor else None, budget)
