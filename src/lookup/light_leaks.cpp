// light_leaks
