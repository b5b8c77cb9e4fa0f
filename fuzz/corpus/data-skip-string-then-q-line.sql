-O""Q;
SET"