// time_tunnel
