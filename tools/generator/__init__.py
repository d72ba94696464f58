"""Makes the generated sources of the driver from the model in model/."""
