// studio_tables
