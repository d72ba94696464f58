"""What scripts/bench is made of: its programs, their budgets, and the reports."""
