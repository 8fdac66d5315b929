# Read by gunicorn when it starts in this folder: gunicorn --certfile shop.pem --keyfile shop.key
import multiprocessing

wsgi_app = "application:application"
bind = "127.0.0.1:8443"
workers = multiprocessing.cpu_count() + 1
worker_class = "gthread"
threads = 8
keepalive = 75  # longer than the balancer keeps a connection idle
