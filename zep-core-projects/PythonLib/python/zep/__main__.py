"""`python -m zep`: which zep this is and where its pieces were found."""
import zep
from zep import _zep

print(f"zep {zep.__version__}")
print(f"native module: {_zep.__file__}")
print(f"packaged holiday file: {zep.Calendar.PackagedHolidayFile()}")
